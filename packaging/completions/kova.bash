# Completion of kova for bash. The program kova computes the possible words.

_kova() {
  # Bash also splits words at colons and equals signs. This loop joins the parts again as they stand on the line.
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

  # Quotation marks and backslashes are not part of a word. The word at the cursor may have an opening mark only.
  local current=${words[${#words[@]}-1]} quote=
  [[ $current != [\"\']* ]] || quote=${current:0:1} current=${current:1}
  [[ $quote == \' ]] || current=${current//\\/}
  for ((i = 0; i < ${#words[@]} - 1; i++)); do
    piece=${words[i]}
    [[ $piece != [\"\']* ]] || piece=${piece:1:${#piece}-2}
    words[i]=${piece//\\/}
  done

  # Bash replaces only the text after the last colon or equals sign, so the text before it is removed from the candidates.
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
