# Completes the arguments of kelvo-check in fish.
complete -c kelvo-check -s h -l help -d 'Show the options'
complete -c kelvo-check -s v -l version -d 'Show the version'
complete -c kelvo-check -l json -d 'Print JSON'
complete -c kelvo-check -l set -d 'Add one JSON object for the set'
complete -c kelvo-check -l plot -r -d 'Draw the response to a .png'
complete -c kelvo-check -l prepare -x -d 'Print a script that makes copies in a folder' -a '(__fish_complete_directories)'
