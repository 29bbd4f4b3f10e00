# Completion of kova for bash; kova itself knows what may stand where.

_kova() {
  # Bash cuts words at colons and equals signs, too; here they are put together again as they stand on the line.
  local rest=${COMP_LINE:0:COMP_POINT} trimmed piece words=() i
  for ((i = 0; i <= COMP_CWORD; i++)); do
    trimmed=${rest#"${rest%%[![:space:]]*}"}
    piece=${COMP_WORDS[i]}
    ((i < COMP_CWORD)) || piece=$trimmed
    if ((i > 0)) && [[ $rest == "$trimmed" ]]; then
      words[${#words[@]}-1]+=$piece
    else
      words+=("$piece")
    fi
    rest=${trimmed#"$piece"}
  done

  # As it is meant: without an opening quotation mark and backslashes.
  local current=${words[${#words[@]}-1]} quote=
  [[ $current != [\"\']* ]] || quote=${current:0:1} current=${current:1}
  [[ $quote == \' ]] || current=${current//\\/}
  for ((i = 0; i < ${#words[@]} - 1; i++)); do
    piece=${words[i]}
    [[ $piece != [\"\']* ]] || piece=${piece:1:${#piece}-2}
    words[i]=${piece//\\/}
  done

  # What bash replaces begins after the last cut.
  local kept=
  [[ $quote || $current != *[:=]* ]] || kept=${current%"${current##*[:=]}"}
  local line candidate
  COMPREPLY=()
  while IFS= read -r line; do
    candidate=${line%%$'\t'*}
    if [[ ! $candidate ]]; then
      compopt -o default 2> /dev/null
      return
    fi
    candidate=${candidate:${#kept}}
    [[ $quote ]] || printf -v candidate %q "$candidate"
    COMPREPLY+=("$candidate")
  done < <("${words[0]}" --complete "${words[@]:1:${#words[@]}-2}" "$current" 2> /dev/null)
}

complete -F _kova kova
