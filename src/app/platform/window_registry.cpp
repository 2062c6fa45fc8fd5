#include "platform/window_registry.h"

#include <cxxabi.h>

#include <cstdlib>
#include <stdexcept>

namespace halvane::app {

namespace {
// "halvane::Face_time" rather than the mangled name, for the message the operator reads.
std::string typeName(const std::type_info& type) {
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return status == 0 && name ? std::string(name.get()) : std::string(type.name());
}
}  // namespace

std::unique_ptr<QWidget> WindowRegistry::make(Window& model, QWidget* parent) const {
    const auto found = m_factories.find(typeid(model));
    if (found == m_factories.end())
        throw std::logic_error("no view is registered for the window " + typeName(typeid(model)));
    return found->second(model, parent);
}

}  // namespace halvane::app
