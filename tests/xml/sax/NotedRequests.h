#ifndef ZUTARNEX_TESTS_XML_SAX_NOTEDREQUESTS_H
#define ZUTARNEX_TESTS_XML_SAX_NOTEDREQUESTS_H

#include "system/HostOverride.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace Quillon::Testing {

/// Notes what is asked of the host's allocating members as long as it lives, up to sixteen requests.
class NotedRequests {
public:
    /// One line per request, such as `allocate 3` and `allocateZeroed 25 x 12`.
    std::vector<std::string> lines() const {
        std::vector<std::string> result;
        for (std::size_t i = 0; i < count; ++i)
            result.push_back(requests[i].isZeroed ? zeroed(requests[i].count, requests[i].size)
                                                  : plain(requests[i].size));
        return result;
    }

    static std::string plain(std::size_t bytes) { return "allocate " + std::to_string(bytes); }
    static std::string zeroed(std::size_t elements, std::size_t size) {
        return "allocateZeroed " + std::to_string(elements) + " x " + std::to_string(size);
    }

private:
    struct Request {
        bool isZeroed;
        std::size_t count;
        std::size_t size;
    };

    static void note(const Request& request) {
        if (count < requests.size())
            requests[count++] = request;
    }

    static inline Runtime::HostServices host;
    static inline std::array<Request, 16> requests;
    static inline std::size_t count;

    const HostOverride noting_{[](Runtime::HostServices& services) {
        host = services;
        count = 0;
        services.allocate = [](std::size_t bytes) {
            note({false, 1, bytes});
            return host.allocate(bytes);
        };
        services.allocateZeroed = [](std::size_t elements, std::size_t size) {
            note({true, elements, size});
            return host.allocateZeroed(elements, size);
        };
    }};
};

} // namespace Quillon::Testing

#endif
