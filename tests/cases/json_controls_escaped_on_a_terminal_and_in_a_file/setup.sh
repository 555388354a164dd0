# A message with DEL, a C1 control (U+009B in UTF-8) and ESC.
printf '<rebuildLog><messageHistory><messageItem><key v="1"/><m><info>del\177 c1\302\233 esc\033</info></m></messageItem></messageHistory></rebuildLog>\n' >log.xml
