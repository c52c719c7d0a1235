# Commands, options and kinds of widgets are offered as the program's own help has them.

_lanternfold_values() {
  # OPTION CURRENT: what may stand behind an option; fails for one that takes no value.
  case $1 in
    --family) COMPREPLY=($(compgen -W 'small medium large' -- "$2")) ;;
    --scheme) COMPREPLY=($(compgen -W 'light dark' -- "$2")) ;;
    --entry) COMPREPLY=($(compgen -W 'timeline snapshot placeholder' -- "$2")) ;;
    --categories) COMPREPLY=($(compgen -W 'internet wlan other cellular' -- "$2")) ;;
    --adapter) COMPREPLY=($(compgen -W "auto $(ls /sys/class/net)" -- "$2")) ;;
    --excluding | --prefix) COMPREPLY=($(compgen -W "$(ls /sys/class/net)" -- "$2")) ;;
    -o | --output | --file | --ca-file | --geolocation-table)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$2")
      ;;
    --data-dir)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$2")
      ;;
    *) grep -qE "^  (-.,)?$1 [A-Z]" <<<"$help" ;;
  esac
}

_lanternfold_commands() {
  sed -n '/^Subcommands:/,/^$/s/^  \([^ ]*\) .*/\1/p' <<<"$help"
}

_lanternfold_positionals() {
  if [ "${commands[*]}" = location ]; then
    echo status allow allow-in-use deny reset
  fi
  sed -n 's/^  kind KIND//p' <<<"$help" | grep -oE '[A-Za-z]+Widget\>'
}

_lanternfold_options() {
  sed -nE 's/^  (-[^ ]+) .*/\1/p' <<<"$help" | tr , '\n'
}

_lanternfold() {
  local program=${1/#\~/$HOME} current=$2 previous=$3 help word
  local -a commands=()
  help=$("$program" --help 2>/dev/null) || return
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    if _lanternfold_commands | grep -qxF -- "$word"; then
      commands+=("$word")
      help=$("$program" "${commands[@]}" --help 2>/dev/null) || return
    fi
  done
  # "--option=value" comes as three words.
  if [ "$previous" = = ]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  elif [ "$current" = = ]; then
    current=
  fi
  COMPREPLY=()
  [[ $previous == -* ]] && _lanternfold_values "$previous" "$current" && return
  word="$(_lanternfold_commands) $(_lanternfold_positionals)"
  [[ $current == -* ]] && word=$(_lanternfold_options)
  COMPREPLY=($(compgen -W "$word" -- "$current"))
}

complete -F _lanternfold lanternfold-widgets lanternfold-widget-host
