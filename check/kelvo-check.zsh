#compdef kelvo-check
_arguments '(- *)'{-h,--help}'[show the options]' '(- *)'{-v,--version}'[show the version]' \
  '--json[print JSON]' '--set[and one object for the set]' \
  '--plot=[draw to a picture]:picture:_files -g "*.(#i)png"' \
  '--prepare=[print a script for copies]:folder:_files -/' \
  '*:file:_files -g "*.(#i)(wav|amp)"'
