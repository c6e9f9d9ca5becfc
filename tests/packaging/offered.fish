# What fish offers in the place of the last word, one candidate on each line:
#   fish --no-config offered.fish COMPLETIONS WORD...
source $argv[1]; or exit
complete -C (string join -- ' ' $argv[2..]) | string replace -r '\t.*' ''
exit 0 # replacing nothing is no mistake
