/* Stands on the PATH of a console under Wine for a program that is there on Windows and here on Linux only: has
 * start_test.py, which listens on this port, run it, shows its output and ends as it did.
 *
 * Sends the name, the folder and the arguments, each with a zero behind it, and one zero more. Gets the output, and in
 * the last byte the exit code. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <winsock2.h> /* which includes windows.h in the order that both want */

static void send_text(SOCKET connection, const char* text)
{
    send(connection, text, (int)strlen(text) + 1, 0);
}

int main(int argc, char** argv)
{
    WSADATA data;
    SOCKET connection;
    struct sockaddr_in address;
    char folder[MAX_PATH];
    char bytes[4096];
    int code = -1;
    int count;
    int i;

    WSAStartup(MAKEWORD(2, 2), &data);
    connection = socket(AF_INET, SOCK_STREAM, 0);
    memset(&address, 0, sizeof address);
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = inet_addr("127.0.0.1");
    address.sin_port = htons((u_short)atoi(getenv("START_TEST_PORT")));
    if (connect(connection, (struct sockaddr*)&address, sizeof address) != 0) {
        fprintf(stderr, "%s: nobody runs it\n", argv[0]);
        return 1;
    }
    GetCurrentDirectoryA(sizeof folder, folder);
    send_text(connection, argv[0]);
    send_text(connection, folder);
    for (i = 1; i < argc; ++i) {
        send_text(connection, argv[i]);
    }
    send(connection, "", 1, 0);
    while ((count = recv(connection, bytes, sizeof bytes, 0)) > 0) {
        if (code >= 0) {
            putchar(code);
        }
        code = (unsigned char)bytes[count - 1];
        fwrite(bytes, 1, (size_t)count - 1, stdout);
    }
    return code;
}
