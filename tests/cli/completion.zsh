# Types lines into a zsh in a pseudo terminal, each with a tab: what becomes of them.
zmodload zsh/zpty
zpty -b shell "COLUMNS=200 PS1= zsh -f -i"
say() { zpty -w shell "$1" }
say "fpath=($1 \$fpath); autoload -U compinit; compinit -u -D; bindkey '^I' complete-word; unsetopt BEEP"
say "zle-tell() { print -r -- \"[[\$BUFFER]]\"; BUFFER= }; zle -N zle-tell; bindkey '^X' zle-tell; print READY\$((1))"
zpty -r shell heard '*READY1*'
for line in 'kova theme b' 'kova scene open D' 'kova scene open "D' 'kova scene open At' 'kova layout show --display A'; do
  zpty -w -n shell "$line"$'\t'$'\x18'
  zpty -r shell heard $'*\\[\\[*\\]\\]*'
  heard=${heard##*\[\[}
  print -r -- "$line => [${heard%%\]\]*}]"
done
zpty -d shell
