INSTRUCTIONS:
  // A label cannot stand on the first line, and a label's line holds nothing but the label.
  INITIALIZE_UI
  // Show the search, and show the text of jvm-message.tag when it finds nothing.
  FIND_JVM 1 1
  // N1 is now 1 or 0, S2 the description of the JVM that was found.
  JMP0 @N1@ nothing-found
  LAUNCH @S2@ 1
  GOTO end
:nothing-found
  // A script's status is that of its last launch, and would be 0 here. No embedded file has the
  // number -1, so that this launch fails, without a word to the user, with status -1 (255).
  ILAUNCH -1 0
:end
/:
