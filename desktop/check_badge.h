// The badge at the left of the status line: how what is shown meets its request. Pressed, it wants the whole list.
#pragma once

#include <QPushButton>

#include "segment/request_check.h"

namespace kavrel {

class CheckBadge : public QPushButton {
    Q_OBJECT

public:
    explicit CheckBadge(QWidget* parent = nullptr);

    void show_check(const RequestCheck& check);
    // While the list is not there yet: grey.
    void show_nothing();
    // In those of the program, once they have changed.
    void colour();

private:
    enum class State { unknown, met, missed };
    void show_state(State state, const QString& text);

    State state_ = State::unknown;
};

}  // namespace kavrel
