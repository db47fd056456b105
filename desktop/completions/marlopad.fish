# Completes the command line of marlopad in fish.
complete -c marlopad -l charset -x -a 'UTF-8 Shift_JIS EUC-JP ISO-2022-JP' -d 'Read the files in a character code'
complete -c marlopad -l new-document -d 'Begin a new document'
complete -c marlopad -l recent-files -d 'Show the files that were closed last'
complete -c marlopad -l wait -d 'Return when the documents have been closed'
complete -c marlopad -l help -d 'Show the options'
complete -c marlopad -l version -d 'Show the version'
