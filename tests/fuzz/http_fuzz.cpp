// The answers of web servers.
// Fields: the limit of the body; then the answer's bytes, in as many pieces as there are fields.
#include <cstdlib>
#include <string>

#include "fuzz/support/fuzz.h"
#include "platform/linux/web/http_reader.h"

namespace Corvetape {

using Fuzz::Require;

void FuzzOne(Fuzz::Input input) {
    const std::string number(input.Field());
    const auto limit = static_cast<size_t>(std::strtoul(number.c_str(), nullptr, 10) % 100'000);
    HttpReader pieces(limit);
    std::string bytes;
    while (!input.Empty()) {
        const std::string_view piece = input.Field();
        pieces.Take(piece);
        bytes += piece;
    }
    HttpReader whole(limit);
    whole.Take(bytes);
    for (HttpReader* reader : {&pieces, &whole}) {
        Require(reader->Body().size() <= limit, "a body stays within its limit");
        Require(reader->HasFailed() || reader->Status() == 0 || reader->Status() >= 200,
                "an interim answer is none");
        reader->Close();
        Require(reader->IsOver(), "the end of the connection is the end of the answer");
    }
    Require(pieces.Status() == whole.Status() || bytes.size() > MostHeadBytes,
            "the status does not depend on the pieces that it comes in");
}

}  // namespace Corvetape
