# Completions of lanternfold-widgets and lanternfold-widget-host for bash.
#
# The program itself is asked what it takes: commands, options, and which of them take a value stand in its
# help.

# _lanternfold_widgets_commands HELP: the commands below the one that the help is of, a line each.
_lanternfold_widgets_commands() {
  awk '/^[A-Z].*:$/ { wanted = $0 == "Subcommands:" } wanted && /^  [a-z]/ { print $1 }' <<<"$1"
}

# _lanternfold_widgets_options HELP: every name of an option, a line each, and what stands for its value.
_lanternfold_widgets_options() {
  awk '/^  -/ {
    value = substr($2, 1, 1) ~ /[A-Z]/ && $0 !~ /^  [^ ]+  / ? $2 : ""
    count = split($1, names, ",")
    for (i = 1; i <= count; ++i) print names[i], value
  }' <<<"$1"
}

# _lanternfold_widgets_words HELP PROGRAM: what may stand in the place of a word that is no option.
_lanternfold_widgets_words() {
  _lanternfold_widgets_commands "$1"
  case "$(awk '/^[A-Z].*:$/ { wanted = $0 == "Positionals:" } wanted && /^  [a-z]/ { print $2 }' <<<"$1")" in
    KIND) grep -o '[A-Z][A-Za-z]*Widget' <<<"$1" ;;
    ACTION) printf '%s\n' status allow allow-in-use deny reset ;;
    ID) "$2" ctl list --json 2>/dev/null </dev/null | grep -o '"id":"[^"]*"' | cut -d '"' -f 4 ;;
  esac | sort -u
}

# _lanternfold_widgets_values OPTION: what its value may be.
_lanternfold_widgets_values() {
  case "$1" in
    --family) printf '%s\n' small medium large ;;
    --scheme) printf '%s\n' light dark ;;
    --entry) printf '%s\n' timeline snapshot placeholder ;;
    --categories) printf '%s\n' internet wlan other cellular ;;
    --adapter) printf '%s\n' auto && ls /sys/class/net ;;
    --excluding) ls /sys/class/net ;;
  esac
}

_lanternfold_widgets() {
  local program=${1/#\~\//$HOME/} current=$2 previous=$3 word help value
  # Bash takes an equals sign for a word of its own.
  if [ "$current" = = ]; then current=''; fi
  if [ "$previous" = = ]; then previous=${COMP_WORDS[COMP_CWORD - 2]}; fi
  local command=()
  help=$("$program" --help 2>/dev/null </dev/null)
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    if _lanternfold_widgets_commands "$help" | grep -qxF -- "$word"; then
      command+=("$word")
      help=$("$program" "${command[@]}" --help 2>/dev/null </dev/null)
    fi
  done

  COMPREPLY=()
  value=$(_lanternfold_widgets_options "$help" | awk -v option="$previous" '$1 == option { print $2 }')
  case "$value" in
    FILE) compopt -o filenames && mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
    DIR) compopt -o filenames && mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
    NAME,NAME)
      local before=''
      if [[ $current == *,* ]]; then before=${current%,*},; fi
      compopt -o nospace
      mapfile -t COMPREPLY < <(compgen -P "$before" -W "$(_lanternfold_widgets_values "$previous")" -- "${current##*,}")
      ;;
    ?*) mapfile -t COMPREPLY < <(compgen -W "$(_lanternfold_widgets_values "$previous")" -- "$current") ;;
    *)
      local words
      if [[ $current == -* ]]; then
        words=$(_lanternfold_widgets_options "$help" | cut -d ' ' -f 1)
      else
        words=$(_lanternfold_widgets_words "$help" "$program")
      fi
      mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
      ;;
  esac
}

complete -F _lanternfold_widgets lanternfold-widgets lanternfold-widget-host
