#include "shell/menu.h"

#include <algorithm>
#include <cctype>

#include "shell/fixed_text.h"

namespace kavrel {

namespace {

constexpr std::string_view separator = " > ";

std::string folded(std::string_view text);
bool starts_with(const MenuItem& item, std::span<const std::string> labels);

}  // namespace

int path_depth(std::string_view path) {
    int depth = 1;
    for (auto at = path.find(separator); at != std::string_view::npos; at = path.find(separator, at + 1)) ++depth;
    return depth;
}

std::string_view path_label(std::string_view path, int level) {
    for (; level > 0; --level) {
        const auto at = path.find(separator);
        if (at == std::string_view::npos) return {};
        path.remove_prefix(at + separator.size());
    }
    return path.substr(0, path.find(separator));
}

std::string plain_label(std::string_view label) {
    std::string plain(label);
    std::erase(plain, '&');
    return plain;
}

bool same_label(std::string_view a, std::string_view b) { return folded(a) == folded(b); }

const MenuItem* find_item(std::span<const MenuItem> menu, std::span<const std::string> labels) {
    const auto found = std::ranges::find_if(menu, [&](const MenuItem& item) {
        return path_depth(item.path) == static_cast<int>(labels.size()) && starts_with(item, labels);
    });
    return found == menu.end() ? nullptr : &*found;
}

const MenuItem* find_item(std::span<const MenuItem> menu, int id) {
    const auto found = std::ranges::find(menu, id, &MenuItem::id);
    return found == menu.end() ? nullptr : &*found;
}

bool opens_submenu(std::span<const MenuItem> menu, std::span<const std::string> labels) {
    return std::ranges::any_of(menu, [&](const MenuItem& item) {
        return path_depth(item.path) > static_cast<int>(labels.size()) && starts_with(item, labels);
    });
}

const MenuItem* accelerator_owner(std::span<const MenuItem> menu, std::string_view accelerator) {
    const auto found = std::ranges::find_if(menu, [&](const MenuItem& item) {
        return !item.accelerator.empty() && same_label(item.accelerator, accelerator);
    });
    return found == menu.end() ? nullptr : &*found;
}

namespace {

std::string folded(std::string_view text) {
    std::string plain = plain_label(trim(text));
    const auto both_blank = [](char a, char b) { return a == ' ' && b == ' '; };
    plain.erase(std::unique(plain.begin(), plain.end(), both_blank), plain.end());
    std::ranges::transform(plain, plain.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return plain;
}

// Whether the first labels of the path are these.
bool starts_with(const MenuItem& item, std::span<const std::string> labels) {
    for (std::size_t i = 0; i < labels.size(); ++i) {
        if (!same_label(path_label(item.path, static_cast<int>(i)), labels[i])) return false;
    }
    return true;
}

}  // namespace

}  // namespace kavrel
