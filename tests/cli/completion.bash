# Prints each command line, and what bash would offer at its end.
source "$1/kova.bash"
compopt() { COMPREPLY=("<$2>"); }
complete_line() { # arguments: the line, and its words as bash splits them
  COMP_LINE=$1 COMP_POINT=${#1}
  shift
  COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
  _kova
  printf '%s =>' "$COMP_LINE"
  printf ' [%s]' "${COMPREPLY[@]}"
  echo
}
complete_line 'kova theme b' kova theme b
complete_line 'kova scene open ' kova scene open ''
complete_line 'kova scene open "deep' kova scene open '"deep'
complete_line 'kova scene open Deep\ W' kova scene open 'Deep\ W'
complete_line 'kova scene open At\ 10:' kova scene open 'At\ 10' :
complete_line 'kova scene open At\ 10:3' kova scene open 'At\ 10' : 3
complete_line 'kova layout show --display=' kova layout show --display =
complete_line 'kova import ' kova import ''
[[ $(complete -p kova) == 'complete -F _kova kova' ]]
