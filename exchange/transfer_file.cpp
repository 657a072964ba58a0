#include "exchange/transfer_file.h"

namespace kavrel {

std::string_view transfer_refusal(int file_type, bool microwave) {
    const bool knows_lines = file_type != TransferFileType::spice && file_type != TransferFileType::sstar;
    return microwave && !knows_lines ? "Microwave filter, file type is not available" : "";
}

}  // namespace kavrel
