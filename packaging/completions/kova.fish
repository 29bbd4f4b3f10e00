# Completion of kova for fish. The program kova computes the possible words.

function __kova_candidates
    set -l words (commandline --tokenize --cut-at-cursor --current-process)
    set -l current (commandline --current-token --cut-at-cursor)
    set -l lines (command kova --complete $words[2..] (string unescape -- $current; or echo -- $current) 2>/dev/null)
    if string match --quiet --regex '^\t' -- $lines[1]
        __fish_complete_path $current
    else
        printf '%s\n' $lines
    end
end

complete --command kova --no-files --keep-order --arguments '(__kova_candidates)'
