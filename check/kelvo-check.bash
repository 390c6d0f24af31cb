# Completes the arguments of kelvo-check in bash. Uses nothing of bash-completion, which may be missing.
_kelvo_check() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} earlier pattern
  COMPREPLY=()
  # bash treats the "=" in --plot=OUT.png as a separate word.
  if [[ $word == = ]]; then
    word=
  elif [[ $before == = ]]; then
    before=${COMP_WORDS[COMP_CWORD-2]}
  fi
  # After "--" everything is a file.
  for earlier in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    [[ $earlier != -- ]] || before=--
  done
  if [[ $before == --prepare ]]; then
    mapfile -t COMPREPLY < <(compgen -d -- "$word")
    return
  fi
  if [[ $word == -* && $before != -- && $before != --plot ]]; then
    mapfile -t COMPREPLY < <(compgen -W '-h --help --json --plot --prepare --set -v --version' -- "$word")
    return
  fi
  pattern='*.@([wW][aA][vV]|[aA][mM][pP])'
  [[ $before != --plot ]] || pattern='*.[pP][nN][gG]'
  mapfile -t COMPREPLY < <(shopt -s extglob; compgen -d -- "$word"; compgen -f -X "!$pattern" -- "$word")
}
complete -o filenames -F _kelvo_check kelvo-check
