#include "shell/disk_files.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "shell/failure.h"

namespace fs = std::filesystem;

namespace fw {

void DiskFiles::Copy(const std::string& from, const std::string& to) {
  std::error_code ec;
  if (!fs::is_regular_file(from, ec)) throw Failure("File not found");
  fs::copy_file(from, to, fs::copy_options::overwrite_existing, ec);
  if (ec) throw Failure("Path/File access error");
}

void DiskFiles::MakeDir(const std::string& path) {
  std::error_code ec;
  // Only the last folder is made: a missing parent or an existing folder fails.
  if (!fs::create_directory(path, ec) || ec) throw Failure("Path/File access error");
}

void DiskFiles::Remove(const std::string& path) {
  std::error_code ec;
  if (!fs::is_regular_file(path, ec) || !fs::remove(path, ec) || ec) throw Failure("File not found");
}

bool DiskFiles::Exists(const std::string& path) {
  std::error_code ec;
  return fs::exists(path, ec);
}

bool DiskFiles::IsDirectory(const std::string& path) {
  std::error_code ec;
  return fs::is_directory(path, ec);
}

std::string DiskFiles::Head(const std::string& path, std::size_t bytes) {
  std::error_code ec;
  if (!fs::is_regular_file(path, ec)) return {};
  std::ifstream in(path, std::ios::binary);
  std::string head(bytes, '\0');
  in.read(head.data(), static_cast<std::streamsize>(bytes));
  head.resize(static_cast<std::size_t>(in.gcount()));
  return head;
}

}  // namespace fw
