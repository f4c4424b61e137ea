#include "platform/cofedata.h"

#include "embedded/contact_faces.h"
#include "embedded/log_file.h"
#include "embedded/model_loader.h"

using orvmesh::embedded::ModelLoader;
using orvmesh::embedded::OfeReader;

COFEData::COFEData() = default;
COFEData::~COFEData() = default;

int COFEData::ReadDataBin(const char* ofePath, const char* logPath, int, bool) {
  model_ = {};
  contactFaces_.reset();
  storage_.reset();
  warnings_.clear();
  error_.clear();
  path_ = ofePath == nullptr ? "" : ofePath;
  openLog(logPath);

  const auto file = std::make_shared<OfeReader>();
  ModelLoader loader(*file, model_);
  if (ofePath == nullptr) {
    error_ = "no path was given";
  } else if (!file->open(path_, false)) {
    error_ = file->errorText();
  } else if (!loader.load()) {
    error_ = loader.errorText();
    model_ = {};
  }
  if (!error_.empty()) {
    DumpErrMsg((path_ + ": " + error_ + "\n").c_str());
    return 0;
  }
  storage_ = file;
  warnings_ = loader.warnings();
  DumpInfoMsg((path_ + ": " + std::to_string(model_.nodes.count()) + " nodes, " +
               std::to_string(model_.elemP.count()) + " plastic, " + std::to_string(model_.elemM.count()) +
               " mold and " + std::to_string(model_.elemC.count()) + " channel elements, " +
               std::to_string(model_.surfaces.count()) + " surface elements\n")
                  .c_str());
  for (const std::string& warning : warnings_) DumpInfoMsg((warning + "\n").c_str());
  return 1;
}

void COFEData::openLog(const char* logPath) {
  logPath_ = logPath == nullptr ? "" : logPath;
  if (!orvmesh::embedded::startLog(logPath_, path_)) logPath_.clear();
}

void COFEData::DumpInfoMsg(const char* text) {
  if (text != nullptr) orvmesh::embedded::appendToLog(logPath_, text, path_);
}
void COFEData::DumpErrMsg(const char* text) { DumpInfoMsg(text); }

const std::vector<ContactFaceRecord>& COFEData::contactFaces() {
  if (!contactFaces_)
    contactFaces_ =
        std::make_unique<std::vector<ContactFaceRecord>>(orvmesh::embedded::findContactFaces(model_));
  return *contactFaces_;
}
