# cmake -DIN=FILE -DOUT=FILE -P Embed.cmake: the bytes of a file as C++ takes them in an array.
file(READ "${IN}" bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
file(WRITE "${OUT}" "${bytes}\n")
