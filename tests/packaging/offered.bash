# What bash offers in the place of the last word, one candidate on each line:
#   bash --norc offered.bash COMPLETIONS WORD...
source "$1"
shift
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
function=$(complete -p "$1" | sed 's/.*-F \([^ ]*\).*/\1/')
"$function" 2>/dev/null
printf '%s\n' "${COMPREPLY[@]}"
