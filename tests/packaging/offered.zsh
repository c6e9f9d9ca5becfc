# What zsh offers in the place of the last word, one candidate on each line:
#   zsh -f offered.zsh COMPLETIONS WORD...
#
# Completion needs a terminal: on a pseudo-terminal the line is typed, then Tab; what the completion
# adds is written down.
zmodload zsh/zpty
completions=$1
shift
folder=$(mktemp -d)
cat > $folder/.zshrc <<END
autoload -Uz compinit
compinit -D -u
fpath=(${completions:A:h} \$fpath)
autoload -Uz ${completions:t}
compdef ${completions:t} tessarine tessarine-desktop background-window-capture
compadd() {
  local -a added
  builtin compadd -A added "\$@"
  print -rl -- \$added >> $folder/offered
  builtin compadd "\$@"
}
write-done() { : > $folder/done }
zle -N write-done
bindkey '^X' write-done
PS1=ready
END
touch $folder/offered
export ZDOTDIR=$folder
zpty shell zsh -d -i
zpty -r shell screen '*ready*'
zpty -w -n shell "$*"$'\t\x18'
for wait in {1..100}; do
  [[ -e $folder/done ]] && break
  sleep 0.05
done
zpty -d shell
grep . $folder/offered | sort -u
rm -r $folder
