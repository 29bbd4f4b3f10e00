# Prints each command line, and what fish would offer at its end.
source $argv[1]/kova.fish
for line in 'kova theme b' 'kova scene open ' 'kova scene open "D' 'kova scene open Deep\\ W' 'kova layout show --display '
    echo "$line =>" (complete --do-complete $line | string replace --regex '^([^\t]*).*' '[$1]')
end
