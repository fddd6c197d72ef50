#include "printer_io/IOHandler.h"

#include <string>

#include "util/CFText.h"

IOHandler::IOHandler(const __CFData* port_information, ZIOErrorCallback error_callback,
                     void* context, const __CFString* path) {
  std::string path_copy;
  const char* const path_text = Ravik::TextOf(path, CFStringGetSystemEncoding(), path_copy);
  if (path_text == nullptr) return;
  loader_.emplace(path, CFSTR(ZIO_PLUGIN_TYPE_ID));
  port_ = static_cast<ZIOPortInterface*>(loader_->GetInterface(CFSTR(ZIO_PORT_INTERFACE_ID)));
  if (port_ == nullptr) return;
  const ZIOOpenParameter parameter = {port_information, nullptr, nullptr,
                                      error_callback,   context, path_text};
  initialised_ = port_->table->initialise(port_, ZIO_INTERFACE_VERSION, &parameter) == 0;
  if (initialised_) use_.SetCancellable(port_);
}

IOHandler::~IOHandler() {
  if (port_ == nullptr) return;
  if (initialised_ && opened_) port_->table->close(port_);
  use_.SetCancellable(nullptr);
  if (initialised_) port_->table->terminate(port_);
  port_->table->release(port_);
}

int IOHandler::Open() {
  if (!initialised_ || Ravik::Termination::IsPending()) return -1;
  const int result = port_->table->open(port_);
  if (result == 0) opened_ = true;
  return result;
}

int IOHandler::Close() {
  if (!opened_) return -1;
  opened_ = false;
  return port_->table->close(port_);
}

int IOHandler::Cancel() {
  return initialised_ ? port_->table->cancel(port_) : -1;
}

int IOHandler::Write(char* bytes, long* length) {
  return MayOperate() ? port_->table->write(port_, bytes, length) : -1;
}

int IOHandler::Flush(unsigned char flag) {
  return MayOperate() ? port_->table->flush(port_, flag) : -1;
}

int IOHandler::Tab() {
  return MayOperate() ? port_->table->tab(port_) : -1;
}

int IOHandler::Read(char* buffer, long* length) {
  return MayOperate() ? port_->table->read(port_, buffer, length) : -1;
}

int IOHandler::Status(char* buffer) {
  return MayOperate() ? port_->table->status(port_, buffer) : -1;
}

int IOHandler::GetInfo(ZIOXInfo* info) {
  return MayOperate() ? port_->table->getInfo(port_, info) : -1;
}

int IOHandler::IOCTL(long selector, void* block) {
  return MayOperate() ? port_->table->ioctl(port_, selector, block) : -1;
}

int IOHandler::Control(ControlElement* block) {
  return MayOperate() ? port_->table->control(port_, block) : -1;
}
