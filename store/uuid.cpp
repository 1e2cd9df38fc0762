#include "store/uuid.h"

#include <algorithm>
#include <cctype>
#include <glib.h> // g_uuid_string_random, g_uuid_string_is_valid

namespace quarrydex {

namespace {
std::string upper(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return s;
}
} // namespace

Uuid Uuid::random() {
    gchar* text = g_uuid_string_random();
    Uuid u(upper(text));
    g_free(text);
    return u;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    std::string s(text);
    if (s.size() != 36 || !g_uuid_string_is_valid(s.c_str())) {
        return std::nullopt;
    }
    return Uuid(upper(std::move(s)));
}

} // namespace quarrydex
