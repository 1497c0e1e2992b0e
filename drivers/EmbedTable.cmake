# Turns the lines of a table (IN) into C++ string literals, one per line (OUT).
file(READ "${IN}" text)
string(REGEX REPLACE "\n+$" "" text "${text}")
string(REPLACE "\n" ")--\",\nR\"--(" text "${text}")
file(WRITE "${OUT}" "R\"--(${text})--\"\n")
