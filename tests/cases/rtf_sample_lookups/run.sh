# The bundled sample log, its names looked up through the simulated volume.
cp "$TESTS_DIR/../examples/sample_rebuild.xml" "$TESTS_DIR/../examples/sample_admin_state.txt" .
exec bash "$WITH_ADMIN" --private --state sample_admin_state.txt /_admin -- \
    bash -c 'exec -a logsift "$LOGSIFT" rtf sample_rebuild.xml'
