# The report of scripts/check-mac: a line for each thing that it checks. Needs no Mac.

same=0
differing=0
unchecked=0

# begin_report FILE: where the lines go, besides standard output.
begin_report() {
  report=$1
  : >"$report"
}

# line VERDICT TEXT: one line, whatever line breaks the text has.
line() { printf '%-11s  %s\n' "$1" "$(tr '\n' ' ' <<<"$2" | sed 's/ *$//')" | tee -a "$report"; }

# expect WHAT EXPECTED FOUND
expect() {
  if [ "$2" = "$3" ]; then
    same=$((same + 1))
    line same "$1: expected $2, found $3"
  else
    differing=$((differing + 1))
    line DIFFERS "$1: expected $2, found ${3:-nothing}"
  fi
}

# not_checked WHAT WHY: it could be checked on this Mac.
not_checked() {
  unchecked=$((unchecked + 1))
  line 'not checked' "$1: $2"
}

# not_here WHAT WHY: it needs another Mac, another system or another team's signature.
not_here() { line 'not here' "$1: $2"; }

# end_report: prints the counts. Succeeds if everything that this Mac can tell is as expected.
end_report() {
  line "" "$same same, $differing differ, $unchecked not checked"
  [ "$same" -gt 0 ] && [ "$differing" -eq 0 ] && [ "$unchecked" -eq 0 ]
}
