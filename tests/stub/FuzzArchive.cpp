// Extracts packs with random damage. The sanitizers judge memory, the checks below what may be told and written.
// Usage: fuzz_archive [ITERATIONS [SEED]]; without arguments as many as fit into 10 seconds, with a fresh seed.

#include <zlib.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "PackMaker.h"
#include "RandomSeed.h"

namespace {

std::vector<Bytes> soundPacks() {
  std::vector<PackEntry> entries(5);
  entries[0].name = "wgcard.html";
  for (int line = 0; line < 200; line++)
    for (uint8_t byte : bytesOf("<a href=\"Page" + std::to_string(line % 17) + ".html\">next</a>\r\n"))
      entries[0].data.push_back(byte);
  entries[1].name = "Page2.html";
  entries[1].data = bytesOf("short");
  entries[2].name = "\xC3\xA4.jpg";
  entries[2].flags = 1 << 11;
  entries[2].method = 0;
  entries[2].data = Bytes(700, 0x5A);
  entries[3].name = "locked.txt";
  entries[3].flags = 1;
  entries[3].data = bytesOf("secret");
  entries[4].name = "empty";
  std::vector<Bytes> packs;
  packs.push_back(makePack(entries, {.prefix = 64}));
  packs.push_back(makePack({entries[0]}));
  entries.erase(entries.begin() + 3);
  packs.push_back(makePack(entries, {.prefix = 5, .comment = "a comment PK\5\6 with a mark"}));
  return packs;
}

void damage(Bytes& pack, std::mt19937& random) {
  static const uint8_t telling[] = {0x00, 0x01, 0x7F, 0x80, 0xFF, 'P', 'K', '/', '\\', ':', '.'};
  if (pack.empty()) return;
  size_t at =
      random() % 3 == 0 ? pack.size() - 1 - random() % std::min<size_t>(pack.size(), 400) : random() % pack.size();
  switch (random() % 7) {
    case 0:
      pack[at] ^= uint8_t(1 << random() % 8);
      break;
    case 1:
      pack[at] = telling[random() % sizeof telling];
      break;
    case 2:
      for (size_t count = 1 + random() % 4; count > 0 && at < pack.size(); count--) pack[at++] = uint8_t(random());
      break;
    case 3:
      pack.erase(pack.begin() + long(at), pack.begin() + long(std::min(pack.size(), at + 1 + random() % 20)));
      break;
    case 4:
      pack.insert(pack.begin() + long(at), 1 + random() % 20, uint8_t(random()));
      break;
    case 5:
      for (size_t from = random() % pack.size(), count = random() % 60; count > 0; count--, from++, at++)
        if (from < pack.size() && at < pack.size()) pack[at] = pack[from];
      break;
    default:
      if (random() % 10 == 0) pack.resize(at);
  }
}

[[noreturn]] void complain(const char* what, uint64_t iteration, unsigned seed) {
  fprintf(stderr, "fuzz_archive: %s (iteration %llu, seed %u)\n", what, (unsigned long long)iteration, seed);
  exit(1);
}

void judge(const MemoryFolder& folder, ArchiveResult result, const Bytes& pack, uint64_t iteration, unsigned seed) {
  uint64_t written = 0;
  for (const auto& [name, file] : folder.files) {
    if (name.empty() || name == "." || name == ".." || name.find_first_of("/\\:*?\"<>|") != std::string::npos ||
        name.back() == '.' || name.back() == ' ')
      complain("a hostile name was created", iteration, seed);
    if (!file.closed) complain("a file was left open", iteration, seed);
    written += file.data.size();
  }
  if (written > pack.size() * 1032) complain("more was written than Deflate can hold", iteration, seed);
  if (result == ArchiveComplete && folder.created.empty()) complain("success without a file", iteration, seed);
}

// A stream is right for one of the two inflates exactly when it is for the other.
void compareWithZlib(const Bytes& stream, uint64_t iteration, unsigned seed) {
  struct Ends {
    const Bytes* input;
    bool given = false;
    Bytes output;
  } ends{&stream, false, {}};
  static InflateWork work;
  InflatePorts ports{&ends,
                     [](void* context, const uint8_t** bytes) {
                       auto* own = static_cast<Ends*>(context);
                       if (own->given) return 0u;
                       own->given = true;
                       *bytes = own->input->data();
                       return uint32_t(own->input->size());
                     },
                     [](void* context, const uint8_t* bytes, uint32_t count) {
                       Bytes& output = static_cast<Ends*>(context)->output;
                       output.insert(output.end(), bytes, bytes + count);
                       return 1;
                     }};
  bool ours = Inflate(&work, &ports) == InflateDone;
  z_stream theirs{};
  inflateInit2(&theirs, -MAX_WBITS);
  Bytes output(ends.output.size() + 70000);
  theirs.next_in = const_cast<Bytef*>(stream.data());
  theirs.avail_in = uInt(stream.size());
  theirs.next_out = output.data();
  theirs.avail_out = uInt(output.size());
  int result = inflate(&theirs, Z_FINISH);
  output.resize(theirs.total_out);
  inflateEnd(&theirs);
  if (ours != (result == Z_STREAM_END)) complain("the two inflates judge differently", iteration, seed);
  if (ours && output != ends.output) complain("the two inflates give different bytes", iteration, seed);
}

}  // namespace

int main(int count, char** arguments) {
  const uint64_t iterations = count > 1 ? strtoull(arguments[1], nullptr, 10) : UINT64_MAX;
  const unsigned seed = count > 2 ? unsigned(strtoul(arguments[2], nullptr, 10)) : RandomSeed("packs");
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  const std::vector<Bytes> packs = soundPacks();
  std::mt19937 random(seed);
  uint64_t iteration = 0;
  uint64_t results[4] = {};
  Bytes text;
  for (int index = 0; index < 3000; index++) text.push_back(uint8_t("abcdefgh"[random() % (1 + index % 8)]));
  const Bytes streams[] = {deflated(text, 9, Z_DEFAULT_STRATEGY), deflated(text, 9, Z_FIXED), deflatedAsShipped(text)};
  for (; iteration < iterations; iteration++) {
    if (iterations == UINT64_MAX && iteration % 64 == 0 && std::chrono::steady_clock::now() > end) break;
    Bytes pack = packs[random() % packs.size()];
    for (unsigned times = random() % 4; times > 0; times--) damage(pack, random);
    MemoryFolder folder;
    if (random() % 8 == 0) folder.room = random() % 20000;
    ArchiveResult result = folder.extract(pack);
    results[result]++;
    judge(folder, result, pack, iteration, seed);

    Bytes stream = streams[random() % std::size(streams)];
    for (unsigned times = 1 + random() % 3; times > 0; times--) damage(stream, random);
    if (!stream.empty()) compareWithZlib(stream, iteration, seed);
  }
  printf("%llu packs: %llu complete, %llu with warnings, %llu damaged, %llu not written\n",
         (unsigned long long)iteration, (unsigned long long)results[0], (unsigned long long)results[1],
         (unsigned long long)results[2], (unsigned long long)results[3]);
  // Packs without any damage are among them, so every kind of result comes up in a run of some length.
  if (iteration >= 1000 && (!results[0] || !results[1] || !results[2] || !results[3]))
    complain("a result never came", iteration, seed);
  return 0;
}
