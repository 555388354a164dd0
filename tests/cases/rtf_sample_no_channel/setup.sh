cp "$TESTS_DIR/../examples/sample_rebuild.xml" .
