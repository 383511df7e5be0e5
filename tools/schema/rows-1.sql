-- Rows, schema 1: a table for what wenlolib rows writes. Later versions may add columns.
-- "offset" has quotes because it is a word of SQL. date_utc is text: a wrong clock may give a year
-- that a database does not take.
CREATE TABLE documents (
  schema BIGINT,
  source TEXT,
  member TEXT,
  name TEXT,
  number BIGINT,
  sha256 TEXT,
  bytes BIGINT,
  fault TEXT,
  layer TEXT,
  "offset" BIGINT,
  field TEXT,
  trusted BOOLEAN,
  layout TEXT,
  version TEXT,
  os_version TEXT,
  date_text TEXT,
  date_utc TEXT,
  offset_minutes BIGINT,
  locale TEXT,
  id TEXT,
  device_id TEXT,
  sn TEXT,
  romver TEXT,
  cipher TEXT,
  contents TEXT,
  contents_hex TEXT,
  contents_bytes BIGINT
);
