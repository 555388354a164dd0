/* minclient.c - the least a management client must do per name lookup:
 * open the command file, switch the handle to command mode, write the
 * request at offset 0 and read the reply back in 1024-byte chunks.
 *   minclient COMMANDFILE REQUESTS   (one request per line) */
#include <stdio.h>
#include <string.h>

int main(int argc, char** argv) {
    static const char sw[] = "<virtualIO><datastream name=\"command\"/></virtualIO>";
    char request[4096], reply[1025];
    FILE* requests;
    if (argc != 3 || !(requests = fopen(argv[2], "r")))
        return 2;
    while (fgets(request, sizeof request, requests)) {
        size_t n = strcspn(request, "\n"), got;
        long offset = 0;
        FILE* f = fopen(argv[1], "r+");
        if (!f)
            return 1;
        fwrite(sw, strlen(sw), 1, f);
        fflush(f);
        fseek(f, 0, SEEK_SET);
        fwrite(request, 1, n, f);
        fflush(f);
        do {
            fseek(f, offset, SEEK_SET);
            got = fread(reply, 1, 1024, f);
            reply[got] = 0;
            offset += 1024;
        } while (got == 1024);
        fclose(f);
    }
    fclose(requests);
    return 0;
}
