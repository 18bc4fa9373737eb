# The headers' comments as doxygen wants them. A backslash before a letter is one of the text, no command. The comment at
# the top is the file's, those at a line's beginning belong to what follows, those behind code to what stands before
# them. Headings between dashes stay as they are.
s|\\([a-z])|\\\\\1|g
1s|^/\* |/** \\file\n|
/^ *\/\* ----/b
s|^( *)/\* |\1/** |
s|([^ ].*) /\* |\1 /**< |
