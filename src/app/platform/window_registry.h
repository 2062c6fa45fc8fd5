#pragma once
// Which Qt view shows which window model: one factory per model type, so that the operator shows every
// window through one call and a new window is one line of registration.

#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <typeindex>
#include <unordered_map>

#include "authoring/window.h"

namespace halvane::app {

class WindowRegistry {
  public:
    // Makes the view of a model; the view keeps a reference to the model, never a copy of its data.
    using Factory = std::function<std::unique_ptr<QWidget>(Window& model, QWidget* parent)>;

    template <class Model>
    void add(std::function<std::unique_ptr<QWidget>(Model& model, QWidget* parent)> make) {
        m_factories[typeid(Model)] = [make = std::move(make)](Window& model, QWidget* parent) {
            return make(static_cast<Model&>(model), parent);
        };
    }
    // The common case: the view is constructed from the model and its parent.
    template <class Model, class View>
    void add() {
        add<Model>([](Model& model, QWidget* parent) { return std::make_unique<View>(model, parent); });
    }

    // The view of `model`, by the model's own type. Throws std::logic_error, naming the type, when no
    // view is registered for it: a window without a view is a fault of the console, not of the operator.
    std::unique_ptr<QWidget> make(Window& model, QWidget* parent) const;

  private:
    std::unordered_map<std::type_index, Factory> m_factories;
};

}  // namespace halvane::app
