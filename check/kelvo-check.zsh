#compdef kelvo-check
_arguments '(- *)'{-h,--help}'[show the options]' '(- *)'{-v,--version}'[show the version]' \
  '--json[print JSON]' '--set[add one JSON object for the set]' \
  '--plot=[draw the response to a .png]:picture:_files -g "*.(#i)png"' \
  '--prepare=[print a script that makes copies in a folder]:folder:_files -/' \
  '*:file:_files -g "*.(#i)(wav|amp)"'
