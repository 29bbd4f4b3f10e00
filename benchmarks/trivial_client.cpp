// The smallest possible client, with which command_benchmark compares `kova`. Sends one line to a Unix socket, reads
// one response and prints it.
//
//   trivial_client SOCKET LINE
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

int main(int argc, char** argv) {
    sockaddr_un address{};
    if (argc != 3 || std::strlen(argv[1]) >= sizeof address.sun_path) return 2;
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, argv[1]);
    const int agent = socket(AF_UNIX, SOCK_STREAM, 0);
    if (agent < 0 || connect(agent, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return 3;
    char text[4096];
    const auto length = std::strlen(argv[2]);
    if (length + 1 > sizeof text) return 2;
    std::memcpy(text, argv[2], length);
    text[length] = '\n';
    if (write(agent, text, length + 1) != static_cast<ssize_t>(length + 1)) return 4;
    const auto received = read(agent, text, sizeof text);
    return received > 0 && write(STDOUT_FILENO, text, static_cast<std::size_t>(received)) == received ? 0 : 5;
}
