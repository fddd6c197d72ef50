# bash completion for printer-media. The program itself says what a word may become.
_printer_media() {
  local cut=$2 typed=${COMP_WORDS[COMP_CWORD]} candidate kept= word quote=
  local -a found
  mapfile -t found < <("$1" complete "${COMP_LINE:0:COMP_POINT}" 2>/dev/null)
  word=${found[0]-}
  if [[ $typed == [\"\']* ]]; then
    quote=${typed:0:1} cut=${typed:1}
  fi
  # The shell replaces what stands behind the last "=" or ":" that is not quoted.
  if [[ $word == *[=:]* ]]; then
    if [[ $word == *"$cut" ]]; then
      kept=${word%"$cut"}
    elif [[ -z $quote ]]; then
      kept=${word%"${word##*[=:]}"}
    fi
  fi
  COMPREPLY=()
  for candidate in "${found[@]:1}"; do
    [[ $candidate != *= ]] || compopt -o nospace
    candidate=${candidate:${#kept}}
    # It is for the shell to read as it stands, as names of printers and records may hold anything.
    case $quote in
      \") candidate=$(sed -e 's/[\\"$`]/\\&/g' -e "s/!/\"'!'\"/g" <<< "$candidate") ;;
      \') candidate=${candidate//\'/\'\\\'\'} ;;
      *) [[ -z $candidate ]] || printf -v candidate %q "$candidate"; candidate=${candidate//\\=/=} ;;
    esac
    COMPREPLY+=("$candidate")
  done
}
complete -o default -F _printer_media printer-media
