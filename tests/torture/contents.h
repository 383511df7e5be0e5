/* The contents of every record of the torture; its programs in Python read them from here. */
#define TORTURE_CONTENTS                 \
  "Usage of a month: Gr\xC3\xB6\xC3\x9F" \
  "e A4, 12 sheets <&> \"'"
