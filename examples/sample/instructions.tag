INSTRUCTIONS:
  // A label cannot stand on the first line, and a label's line holds nothing but the label.
  INITIALIZE_UI
  // Show the search, and show the text of jvm-message.tag when it finds nothing.
  FIND_JVM 1 1
  // N1 is now 1 or 0, S2 the description of the Java that was found.
  JMP0 @N1@ no-java
  LAUNCH @S2@ 1
  GOTO end
:no-java
  // Run the launch script with the jvm file of the number 69, no-java.tag: it ends with status 69.
  ILAUNCH 69 0
:end
/:
