# Fails when the translation source TS holds an entry that is not finished, or empty.
file(READ ${TS} content)
# What is told of a text may stand between it and its translation.
set(source "<source>[^<]*</source>([^<]*<([a-z]*comment|oldsource)>[^<]*</([a-z]*comment|oldsource)>)*[^<]*")
string(REGEX MATCHALL "${source}<translation type=[^>]*>" open_entries "${content}")
string(REGEX MATCHALL "${source}<translation(/>|>[ \n]*</translation>)" empty_entries "${content}")
string(REGEX MATCHALL "${source}<translation>[ \n]*(<numerusform>[^<]+</numerusform>[ \n]*)*<numerusform(/>|>[ \n]*</numerusform>)"
    empty_forms "${content}")
foreach(entry IN LISTS open_entries empty_entries empty_forms)
    message(SEND_ERROR "${TS}: no finished translation of: ${entry}")
endforeach()
