# Types each command line and a tab into a zsh in a pseudo terminal; prints the line and its completion.
zmodload zsh/zpty
zpty -b shell "COLUMNS=200 PS1= zsh -f -i"
say() { zpty -w shell "$1" }
# Only the base functions of the completion system are in fpath; with all functions each run would read a thousand files.
say "setopt EXTENDED_GLOB"
say "fpath=($1 \${fpath:#*/(site-functions|vendor-*|Completion/(^Base))}); autoload -U compinit; compinit -u -D; bindkey '^I' complete-word; unsetopt BEEP"
say "zle-tell() { print -r -- \"[[\$BUFFER]]\"; BUFFER= }; zle -N zle-tell; bindkey '^T' zle-tell; print READY\$((1))"
zpty -r shell output '*READY1*'
for line in 'kova theme b' 'kova scene open D' 'kova scene open "D' 'kova scene open At' 'kova layout show --display A' 'kova layout show --display '; do
  zpty -w -n shell "$line"$'\t\x14'
  zpty -r shell output $'*\\[\\[*\\]\\]*'
  output=${output##*\[\[}
  print -r -- "$line => [${output%%\]\]*}]"
done
zpty -d shell
