// The files that a session has read or written: whatever else changes one of them is not overwritten unasked.
#pragma once

#include <string>
#include <string_view>

#include "shell/reporter.h"
#include "shell/session.h"

namespace kavrel {

// Whether a file of this name is to be written. It is asked where there is one that is read-only, that another program
// has changed since this session read or wrote it, or that this session has not written while the extension that was
// typed has given way to another one. "No" is a refusal, with its box.
[[nodiscard]] bool may_write(const Session& session, Reporter& reporter, std::string_view typed,
                             const std::string& name);

// Notes a file as it is known, or as it was written under a name that was to get this extension; a stream, which has no
// mark, is not one.
void note_known(Session& session, const std::string& name, const FileMark& mark);
void note_written(Session& session, const std::string& name, const FileMark& mark);

// Asks, writes the file whole and notes it. Refused when the answer was No, with its box; not written without one.
enum class WriteVerdict { written, refused, not_written };
[[nodiscard]] WriteVerdict write_known(Session& session, Reporter& reporter, std::string_view typed,
                                       const std::string& name, std::string_view bytes);

}  // namespace kavrel
