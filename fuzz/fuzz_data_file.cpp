// The data file ("quarrydex-data.json"): decoding, a round trip through the encoder, and
// a store that opens a folder holding it.

#include "fuzz_support.h"
#include "store/records.h"
#include "store/stone_store.h"

#include <fstream>

using namespace quarrydex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes = fuzz::bytesOf(data, size);
    Result<StoneDataFile> decoded = StoneDataFile::decode(bytes);
    if (decoded) {
        // Whatever loads must save, and read back as what was saved.
        Result<std::string> encoded = decoded->encode();
        fuzz::require(bool(encoded), "a data file that loads can be saved");
        Result<StoneDataFile> again = StoneDataFile::decode(*encoded);
        fuzz::require(bool(again), "a saved data file loads");
        fuzz::require(again->collection == decoded->collection &&
                          again->history == decoded->history &&
                          again->favorites == decoded->favorites,
                      "the data file survives a round trip");
    }

    // The store over a folder holding these bytes: it loads them or keeps a damaged copy.
    std::filesystem::path root = fuzz::freshFolder();
    std::ofstream(root / "quarrydex-data.json", std::ios::binary)
        .write(bytes.data(), std::streamsize(size));
    StoneStore store(root);
    fuzz::require(bool(decoded) == !store.lastError(), "the store loads what decodes");
    if (decoded) {
        store.toggleFavorite("quartz");
        fuzz::require(!store.lastError(), "a loaded store saves");
    }
    return 0;
}
