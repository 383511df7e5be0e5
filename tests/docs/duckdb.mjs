// Runs SQL in a new DuckDB database in memory; prints the rows of each statement as a line of JSON.
//
//     node duckdb.mjs FOLDER_OF_NODE_MODULES FILE.sql...
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { resolve } from "node:path";

const [modules, ...files] = process.argv.slice(2);
const { DuckDBInstance } = createRequire(resolve(modules) + "/")("@duckdb/node-api");
const instance = await DuckDBInstance.create(":memory:");
const connection = await instance.connect();
for (const file of files) {
  const statements = await connection.extractStatements(readFileSync(file, "utf8"));
  for (let i = 0; i < statements.count; i++) {
    const answer = await (await statements.prepare(i)).runAndReadAll();
    console.log(JSON.stringify(answer.getRowObjectsJson()));
  }
}
