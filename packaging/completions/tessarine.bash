# Completions of tessarine, tessarine-desktop and background-window-capture for bash.
# bash on macOS is too old for mapfile.
# shellcheck disable=SC2207

# Files and folders, also where bash is as old as on macOS.
_tessarine_files() {
  local IFS=$'\n'
  compopt -o filenames 2>/dev/null
  COMPREPLY=($(compgen -f -- "$current"))
}

_tessarine() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local commands="close choose-folder choose-path click-point type-text press-key list-windows
    list-background-panels inspect-open-dialog"
  local keys="return enter delete backspace escape esc cmd-a command-a cmd-shift-g command-shift-g"
  COMPREPLY=()
  if [[ $COMP_CWORD == 1 ]]; then
    COMPREPLY=($(compgen -W "$commands --help" -- "$current"))
    return
  fi
  case $previous in
    --path) _tessarine_files; return ;;
    --key) COMPREPLY=($(compgen -W "$keys" -- "$current")); return ;;
    --pid | --timeout | --x | --y | --text | --exclude-window-id) return ;;
  esac
  local options="--pid --timeout --quiet --help"
  case ${COMP_WORDS[1]} in
    close) options+=" --strict-background --temporary-foreground --exclude-window-id" ;;
    choose-folder)
      options+=" --path --prefer-background-panel --strict-background --temporary-foreground
        --exclude-window-id --verify" ;;
    choose-path) options+=" --path --exclude-window-id --verify" ;;
    click-point) options+=" --x --y" ;;
    type-text) options+=" --text" ;;
    press-key) options+=" --key" ;;
    list-background-panels) options+=" --exclude-window-id" ;;
  esac
  COMPREPLY=($(compgen -W "$options" -- "$current"))
}

_background_window_capture() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  if [[ $COMP_CWORD == 1 ]]; then
    COMPREPLY=($(compgen -W "list capture permissions --help" -- "$current"))
  elif [[ $previous == --out ]]; then
    _tessarine_files
  elif [[ ${COMP_WORDS[1]} == capture && $previous != --window-id ]]; then
    COMPREPLY=($(compgen -W "--window-id --out" -- "$current"))
  elif [[ ${COMP_WORDS[1]} == permissions ]]; then
    COMPREPLY=($(compgen -W "--json" -- "$current"))
  fi
}

# The scenarios that come with the desktop, and files that hold one.
_tessarine_scenarios() {
  _tessarine_files
  local names
  names=$("${COMP_WORDS[0]}" list 2>/dev/null | cut -d ' ' -f 1)
  COMPREPLY+=($(compgen -W "$names" -- "$current"))
}

_tessarine_desktop() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  if [[ $COMP_CWORD == 1 ]]; then
    COMPREPLY=($(compgen -W "run serve state replay list import --help" -- "$current"))
    return
  fi
  case $previous in
    --record | --socket | --windows) _tessarine_files; return ;;
    --) COMPREPLY=($(compgen -c -- "$current")); return ;;
  esac
  local options=""
  case ${COMP_WORDS[1]} in
    run) options="--record --record-requests --judge" ;;
    serve) options="--socket --record --record-requests" ;;
    state) options="--socket" ;;
    import) options="--windows --keep-names" ;;
  esac
  if [[ $current == -* ]]; then
    COMPREPLY=($(compgen -W "$options" -- "$current"))
    return
  fi
  case ${COMP_WORDS[1]} in
    run | serve) _tessarine_scenarios ;;
    import | replay) _tessarine_files ;;
  esac
}

complete -F _tessarine tessarine
complete -F _tessarine_desktop tessarine-desktop
complete -F _background_window_capture background-window-capture
