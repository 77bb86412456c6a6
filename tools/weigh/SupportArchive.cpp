#include "SupportArchive.h"

#include <archive.h>
#include <archive_entry.h>

#include <cstring>
#include <ctime>

#include "Failure.h"
#include "ReportTexts.h"
#include "Texts.h"

namespace weigh {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kOwnerOnly = 0600;

Failure cannotWrite(const fs::path& file, const std::string& why) {
  return {kWrongUsage, fill(text::kArchiveFails, {file.string(), why}),
          say(text::kArchiveFailsRemedy)};
}

}  // namespace

void SupportArchive::Free::operator()(archive* writer) const { ::archive_write_free(writer); }

SupportArchive::SupportArchive(fs::path file)
    : file_(std::move(file)), part_(file_.string() + ".part"), writer_(::archive_write_new()) {
  require(::archive_write_add_filter_gzip(writer_.get()));
  require(::archive_write_set_format_pax_restricted(writer_.get()));
  require(::archive_write_open_filename(writer_.get(), part_.c_str()));
}

SupportArchive::~SupportArchive() {
  writer_.reset();
  std::error_code error;
  fs::remove(part_, error);
}

void SupportArchive::require(long result) {
  if (result >= ARCHIVE_OK) return;
  const char* why = ::archive_error_string(writer_.get());
  throw cannotWrite(file_, why == nullptr ? "" : why);
}

void SupportArchive::add(const std::string& name, std::string_view content) {
  const std::unique_ptr<archive_entry, void (*)(archive_entry*)> entry(::archive_entry_new(),
                                                                       &::archive_entry_free);
  ::archive_entry_set_pathname_utf8(entry.get(), name.c_str());
  ::archive_entry_set_size(entry.get(), static_cast<la_int64_t>(content.size()));
  ::archive_entry_set_filetype(entry.get(), AE_IFREG);
  ::archive_entry_set_perm(entry.get(), kOwnerOnly);
  ::archive_entry_set_mtime(entry.get(), std::time(nullptr), 0);
  require(::archive_write_header(writer_.get(), entry.get()));
  require(::archive_write_data(writer_.get(), content.data(), content.size()));
}

void SupportArchive::finish() {
  require(::archive_write_close(writer_.get()));
  std::error_code error;
  fs::rename(part_, file_, error);
  if (error) throw cannotWrite(file_, error.message());
}

}  // namespace weigh
