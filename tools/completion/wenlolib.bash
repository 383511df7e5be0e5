# Completion of wenlolib for bash.

# Sets `call` and `kind` of the caller from the words so far.
_wenlolib_parse() {
  local word
  for word in "$@"; do
    case $word in
      verify | decode | rows | collect | diff | explain | preview | record | list | report | forget | path | doctor | init | help) call=${call:-$word} ;;
      app | printer) kind=${kind:-$word} ;;
    esac
  done
}

# What may follow: subcommands, kinds and options.
_wenlolib_options() {
  local record='--name --option' printer='--device-id --sn --romver --new-tag-type'
  local replay='--os --date --library-version --preferences --support-list --json'
  local choice='--since --until --kind --printer'
  local calls='verify decode rows collect diff explain preview record list report forget path doctor init'
  case "$call $kind" in
    ' '*) echo "$calls help --version" ;;
    'verify '*) echo '--json --quiet --list --files-from --null --jobs' ;;
    'decode '*) echo '--json --contents --redact --files-from --null --jobs' ;;
    'rows '*) echo '--csv --redact --files-from --null --jobs' ;;
    'collect '*) echo '--into --show --redact --files-from --null --jobs' ;;
    'diff '*) echo '--json' ;;
    'list '*) echo "$choice --json --contents" ;;
    'report '*) echo '--redact --force' ;;
    'forget '*) echo "--all $choice --identifier --yes" ;;
    'path '*) ;;
    'doctor '*) echo '--json --clean --plugin' ;;
    'explain app') echo "--option $replay" ;;
    'explain printer') echo "$replay" ;;
    'preview app') echo "$record --bytes" ;;
    'preview printer') echo "$record $printer --bytes" ;;
    'record app') echo "$record --keep" ;;
    'record printer') echo "$record $printer --keep" ;;
    'init '*) echo '--sample-preferences --agree --force' ;;
    'help '*) echo "$calls" ;;
    *) echo 'app printer' ;;
  esac
  echo '--root --color --exit-zero --help'
}

_wenlolib() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} call='' kind=''
  COMPREPLY=()
  case $previous in
    --root) mapfile -t COMPREPLY < <(compgen -d -- "$current"); return ;;
    --color) mapfile -t COMPREPLY < <(compgen -W 'auto always never' -- "$current"); return ;;
    --preferences | --support-list | --plugin | --files-from | --into)
      mapfile -t COMPREPLY < <(compgen -f -- "$current"); return ;;
    --kind) mapfile -t COMPREPLY < <(compgen -W 'app printer' -- "$current"); return ;;
    --since | --until | --printer | --name | --option | --os | --date | --library-version | --jobs | --device-id | --sn | --romver)
      return ;;
  esac
  _wenlolib_parse "${COMP_WORDS[@]:1:COMP_CWORD-1}"
  # Files only where the call takes some: documents, or the contents of a record.
  case "$current:$call $kind" in
    -*) ;;
    *':verify '* | *':decode '* | *':rows '* | *':collect '* | *':diff '* | *':preview '[ap]* | *':record '[ap]* | *':report '*)
      mapfile -t COMPREPLY < <(compgen -f -- "$current"); return ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$(_wenlolib_options)" -- "$current")
}
complete -o filenames -F _wenlolib wenlolib
