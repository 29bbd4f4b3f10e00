# Types lines into a zsh in a pseudo terminal, each with a tab: what becomes of them.
zmodload zsh/zpty
zpty -b shell "COLUMNS=200 PS1= zsh -f -i"
say() { zpty -w shell "$1" }
# Of all completions only what completion itself is made of, or each run would read a thousand files.
say "setopt EXTENDED_GLOB"
say "fpath=($1 \${fpath:#*/(site-functions|vendor-*|Completion/(^Base))}); autoload -U compinit; compinit -u -D; bindkey '^I' complete-word; unsetopt BEEP"
say "zle-tell() { print -r -- \"[[\$BUFFER]]\"; BUFFER= }; zle -N zle-tell; bindkey '^T' zle-tell; print READY\$((1))"
zpty -r shell heard '*READY1*'
for line in 'kova theme b' 'kova scene open D' 'kova scene open "D' 'kova scene open At' 'kova layout show --display A' 'kova layout show --display '; do
  zpty -w -n shell "$line"$'\t\x14'
  zpty -r shell heard $'*\\[\\[*\\]\\]*'
  heard=${heard##*\[\[}
  print -r -- "$line => [${heard%%\]\]*}]"
done
zpty -d shell
