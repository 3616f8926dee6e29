#include "platform/host/browser/addresses.h"

#include <glib.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <memory>

namespace host {

namespace {

/// The number of a network interface's address as others reach it; empty for any other kind of address.
std::string reachableNumber(const ifaddrs& interface, bool sixToo) {
    if (interface.ifa_addr == nullptr || (interface.ifa_flags & (IFF_RUNNING | IFF_LOOPBACK)) != IFF_RUNNING) return {};
    const int family = interface.ifa_addr->sa_family;
    if (family != AF_INET && (family != AF_INET6 || !sixToo)) return {};
    const socklen_t size = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
    std::array<char, NI_MAXHOST> number{};
    getnameinfo(interface.ifa_addr, size, number.data(), number.size(), nullptr, 0, NI_NUMERICHOST);
    const std::string text = number.data();
    // A number that means something only together with an interface ('%') cannot stand in an address.
    return text.find('%') == std::string::npos ? text : "";
}

std::vector<std::string> numbersOfThisMachine(bool sixToo) {
    std::vector<std::string> numbers;
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0) return numbers;
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(list, freeifaddrs);
    for (const ifaddrs* one = list; one != nullptr; one = one->ifa_next) {
        const std::string number = reachableNumber(*one, sixToo);
        if (!number.empty()) numbers.push_back(number);
    }
    return numbers;
}

}  // namespace

std::string localName() {
    const std::string name = g_get_host_name();
    return name.substr(0, name.find('.')) + ".local";
}

std::vector<std::string> pageAddresses(const std::string& listen, int port, std::string_view query) {
    std::vector<std::string> hosts{listen};
    if (listen == "0.0.0.0" || listen == "::") {
        hosts = numbersOfThisMachine(listen == "::");
        if (hosts.empty()) hosts.emplace_back("127.0.0.1");
        hosts.push_back(localName());
    }
    std::vector<std::string> addresses;
    for (const std::string& host : hosts) {
        const std::string written = host.find(':') == std::string::npos ? host : '[' + host + ']';
        addresses.push_back("http://" + written + ':' + std::to_string(port) + '/');
        addresses.back() += query;
    }
    return addresses;
}

}  // namespace host
