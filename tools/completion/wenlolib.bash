# Completion of wenlolib for bash.
_wenlolib_options() {
  local word call='' kind='' record='--name --option' printer='--device-id --sn --romver --new-tag-type'
  local replay='--os --date --library-version --preferences --support-list --json'
  for word in "$@"; do
    case $word in
      verify | decode | diff | explain | preview | record | doctor | init) call=${call:-$word} ;;
      app | printer) kind=${kind:-$word} ;;
    esac
  done
  case "$call $kind" in
    ' '*) echo 'verify decode diff explain preview record doctor init --version' ;;
    'verify '*) echo '--json --quiet --list --files-from --null --jobs' ;;
    'decode '*) echo '--json --contents --redact --files-from --null --jobs' ;;
    'diff '*) echo '--json' ;;
    'doctor '*) echo '--json --clean' ;;
    'explain app') echo "--option $replay" ;;
    'explain printer') echo "$replay" ;;
    'preview app') echo "$record --bytes" ;;
    'preview printer') echo "$record $printer --bytes" ;;
    'record app') echo "$record" ;;
    'record printer') echo "$record $printer" ;;
    'init '*) echo '--sample-preferences --agree' ;;
    *) echo 'app printer' ;;
  esac
  echo '--root --color --help'
}

_wenlolib() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} options
  COMPREPLY=()
  case $previous in
    --root) mapfile -t COMPREPLY < <(compgen -d -- "$current"); return ;;
    --color) mapfile -t COMPREPLY < <(compgen -W 'auto always never' -- "$current"); return ;;
    --preferences | --support-list | --files-from) mapfile -t COMPREPLY < <(compgen -f -- "$current"); return ;;
    --name | --option | --os | --date | --library-version | --jobs | --device-id | --sn | --romver)
      return ;;
  esac
  options=$(_wenlolib_options "${COMP_WORDS[@]:1:COMP_CWORD-1}")
  # Once subcommand and kind are given, the other words are files.
  if [[ $current == -* || $options == verify* || $options == app* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}
complete -o filenames -F _wenlolib wenlolib
