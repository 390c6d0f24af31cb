# Completes the arguments of kelvo-check in fish.
complete -c kelvo-check -s h -l help -d 'Show the options'
complete -c kelvo-check -s v -l version -d 'Show the version'
complete -c kelvo-check -l json -d 'Print JSON'
complete -c kelvo-check -l set -d 'And one object for the set'
complete -c kelvo-check -l plot -r -d 'Draw to a .png'
complete -c kelvo-check -l prepare -x -d 'Print a script for copies in a folder' -a '(__fish_complete_directories)'
