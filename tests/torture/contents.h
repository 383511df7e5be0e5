/* The contents of every record in the torture. Its Python programs read them from here. */
#define TORTURE_CONTENTS                 \
  "Usage of a month: Gr\xC3\xB6\xC3\x9F" \
  "e A4, 12 sheets <&> \"'"
