#pragma once
// The base of every window model, so that the operator shows any window through one call.

#include <functional>
#include <memory>

namespace halvane {

// Modal: show() returns once the window has closed. Modeless: show() returns at once and the window
// stays up until the operator closes it or its model goes.
enum class Modality { Modal, Modeless };

// Who owns what: the code that shows a window owns its model; the operator's side owns the view. A
// modeless model must outlive the show() call; when it is destroyed all the same, it first tells the
// view through the closer the operator's side installed, so no view is left holding a dead model. A
// model is not destroyed from inside its own view's event handler.
class Window {
  public:
    Window() = default;
    // One model, one view: a copy would not know the view that shows the original.
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window() {
        m_alive.reset();
        if (auto close = std::move(m_closer)) close();
    }

    // Installed by the view's side while a view shows this model; run once, when the model goes.
    void setViewCloser(std::function<void()> closer) { m_closer = std::move(closer); }
    // Expires the moment the model starts to go: a view's side checks it before touching the model.
    std::weak_ptr<const void> lifetime() const { return m_alive; }

  private:
    std::shared_ptr<const void> m_alive = std::make_shared<int>(0);
    std::function<void()> m_closer;
};

}  // namespace halvane
