# fish completion for tallowby(1); the program takes one option.

complete -c tallowby -f
set -l unused 'test (count (commandline -opc)) -eq 1'
complete -c tallowby -n $unused -l toggle -d 'Turn the screen over, or back'
complete -c tallowby -n $unused -l settings -d 'Open the settings'
complete -c tallowby -n $unused -l quit -d 'End the running program'
complete -c tallowby -n $unused -l version -d 'Print the version'
complete -c tallowby -n $unused -l help -d 'Print how it is called'
