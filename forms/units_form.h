// "Select preferred units".
#pragma once

#include "shell/form.h"
#include "shell/session.h"

namespace kavrel {

extern const Form MENU2_DLG;

// Shows the units form; after OK settles the units and, where the session keeps settings, rewrites the settings file.
// The working copies follow with the next event.
void choose_units(Session& session, Reporter& reporter);

}  // namespace kavrel
