# bash completion for pelmora                                              -*- shell-script -*-

# Prints the options of a command, or those of the program itself.
_pelmora_options() {
  case $1 in
    window) echo --size --preview --renderer --verbose --help ;;
    render)
      echo --out --layers --frames --size --scale --displays --screen --preview --start --at --fps \
        --from --to --no-settle --samples --track --artist --album --verbose --help
      ;;
    settings) echo --verbose --help ;;
    idle) echo --delay --not-on-battery --verbose --help ;;
    register) echo --select --file --help ;;
    unregister) echo --file --help ;;
    defaults) echo --help ;;
    check) echo --size --out --help ;;
    match) echo -0 --help ;;
    sources) echo --chance --days --screens --disabled --help ;;
    '') echo --root --window-id --no-layers --renderer --verbose --help --version ;;
  esac
}

# Prints what an option's value can be: "file", "folder", words, or nothing that is known.
_pelmora_values() {
  case $1 in
    --renderer) echo auto gpu software ;;
    --layers | --file) echo file ;;
    --frames) echo folder ;;
    --out) [ "$2" = check ] && echo folder || echo file ;;
    --days) echo all none sun mon tue wed thu fri sat ;;
    --screens) echo all ;;
    --size | --scale | --displays | --screen | --start | --at | --fps | --from | --to) echo other ;;
    --track | --artist | --album | --chance | --delay | --window-id) echo other ;;
  esac
}

# Completes the current word by a kind of file, or by words.
_pelmora_reply() {
  local line
  COMPREPLY=()
  case $1 in
    file | folder)
      compopt -o filenames 2>/dev/null
      local action=-f
      [ "$1" = file ] || action=-d
      while IFS= read -r line; do
        COMPREPLY+=("$line")
      done < <(compgen "$action" -- "$2")
      ;;
    other) ;;
    *)
      while IFS= read -r line; do
        COMPREPLY+=("$line")
      done < <(compgen -W "$1" -- "$2")
      ;;
  esac
}

_pelmora() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local commands='window render settings idle defaults check match sources register unregister'
  local keys='Delay FilterPredicate NumImages ShowiTunesTrack Sources UsePolaroid iTunesTrackType'
  local command='' values i
  local -a words=()

  case " $commands " in
    *" ${COMP_WORDS[1]} "*) [ "$COMP_CWORD" -lt 2 ] || command=${COMP_WORDS[1]} ;;
  esac
  values=$(_pelmora_values "$previous" "$command")
  if [ -n "$values" ]; then
    # A list of days goes on behind its last comma.
    if [ "$previous" = --days ] && [[ $current == *,* ]]; then
      _pelmora_reply 'sun mon tue wed thu fri sat' "${current##*,}"
      COMPREPLY=("${COMPREPLY[@]/#/${current%,*},}")
      return
    fi
    _pelmora_reply "$values" "$current"
    return
  fi
  if [[ $current == -* ]]; then
    _pelmora_reply "$(_pelmora_options "$command")" "$current"
    return
  fi

  # The words of the command so far, without options and their values.
  for ((i = 2; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      -*) [ -z "$(_pelmora_values "${COMP_WORDS[i]}" "$command")" ] || ((++i)) ;;
      *) words+=("${COMP_WORDS[i]}") ;;
    esac
  done
  case $command:${#words[@]}:${words[0]-} in
    :*) [ "$COMP_CWORD" -ne 1 ] || _pelmora_reply "$commands" "$current" ;;
    defaults:0:) _pelmora_reply 'read write delete' "$current" ;;
    defaults:1:*) _pelmora_reply "$keys" "$current" ;;
    sources:0:) _pelmora_reply 'list add remove' "$current" ;;
    sources:1:add | sources:1:remove) _pelmora_reply folder "$current" ;;
    check:*) _pelmora_reply file "$current" ;;
    match:[1-9]*) _pelmora_reply folder "$current" ;;
  esac
}

complete -F _pelmora pelmora
