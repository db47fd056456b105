# Fails when the translation source TS holds an entry that is not finished, or empty.
file(READ ${TS} content)
string(REGEX MATCHALL "<source>[^<]*</source>[^<]*<translation type=[^>]*>" open_entries "${content}")
string(REGEX MATCHALL "<source>[^<]*</source>[^<]*<translation>[ \n]*</translation>" empty_entries "${content}")
foreach(entry IN LISTS open_entries empty_entries)
    message(SEND_ERROR "${TS}: no finished translation of: ${entry}")
endforeach()
