# bash completion for printer-media. The program itself says what a word may become.
_printer_media() {
  local cut=$2 typed=${COMP_WORDS[COMP_CWORD]} candidate kept= word
  local -a found
  mapfile -t found < <("$1" complete "${COMP_LINE:0:COMP_POINT}" 2>/dev/null)
  word=${found[0]-}
  # Where the word is not quoted, the shell replaces what stands behind its last "=" or ":".
  [[ $typed == [\"\']* || $word != *[=:]* ]] || kept=${word%"$cut"}
  COMPREPLY=()
  for candidate in "${found[@]:1}"; do
    [[ $candidate != *= ]] || compopt -o nospace
    candidate=${candidate:${#kept}}
    [[ $typed == [\"\']* || -z $candidate ]] || printf -v candidate %q "$candidate"
    COMPREPLY+=("${candidate//\\=/=}")
  done
}
complete -o default -F _printer_media printer-media
