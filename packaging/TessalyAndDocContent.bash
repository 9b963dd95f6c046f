# Completion of TessalyAndDocContent for bash.

_TessalyAndDocContent() {
  local commands="databases documents show items import export set evaluate check compare attachments formulas integrity nsf"
  local common="--help --version --workspace --json --yes"
  local choosing="--view --formula --search"
  local word="${COMP_WORDS[COMP_CWORD]}" before="${COMP_WORDS[COMP_CWORD-1]}"
  local command="" i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case "${COMP_WORDS[i]}" in
      --workspace) ((++i)) ;;
      -*) ;;
      *) command="${COMP_WORDS[i]}"; break ;;
    esac
  done

  case "$before" in
    --workspace | --extract) mapfile -t COMPREPLY < <(compgen -d -- "$word"); return ;;
    --output) mapfile -t COMPREPLY < <(compgen -f -- "$word"); return ;;
    --type) mapfile -t COMPREPLY < <(compgen -W "text number date" -- "$word"); return ;;
    --into) _TessalyAndDocContent_databases "$word"; return ;;
    --server | --view | --formula | --search | --items) COMPREPLY=(); return ;;
  esac

  if [[ -z "$command" ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands $common" -- "$word")
    return
  fi
  if [[ "$word" == -* ]]; then
    local own=""
    case "$command" in
      databases) own="--server" ;;
      documents) own="$choosing" ;;
      import) own="--into --create" ;;
      export) own="$choosing --dxl --csv --items --output" ;;
      set) own="--type" ;;
      attachments) own="--extract" ;;
      nsf) own="--salvage" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$own $common" -- "$word")
    return
  fi
  case "$command" in
    import) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    documents | show | items | export | set | evaluate | attachments | formulas | integrity)
      if ((i == COMP_CWORD - 1)); then _TessalyAndDocContent_databases "$word"; else COMPREPLY=(); fi ;;
    nsf)
      if ((i == COMP_CWORD - 1)); then mapfile -t COMPREPLY < <(compgen -W "info dump" -- "$word")
      else mapfile -t COMPREPLY < <(compgen -f -- "$word"); fi ;;
    compare) _TessalyAndDocContent_databases "$word" ;;
    *) COMPREPLY=() ;;
  esac
}

# The names of databases as the program lists them, where it is found under the name that is being completed.
_TessalyAndDocContent_databases() {
  local names
  names=$("${COMP_WORDS[0]}" databases 2>/dev/null | sed 's/  .*//')
  local IFS=$'\n'
  mapfile -t COMPREPLY < <(compgen -W "$names" -- "$1")
}

complete -F _TessalyAndDocContent TessalyAndDocContent
