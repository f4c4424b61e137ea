#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/mesh_records.h"

// The mesh model of one OFE file, its information dump and the relations it can compute.
class COFEData {
 public:
  COFEData();
  virtual ~COFEData();
  COFEData(const COFEData&) = delete;
  COFEData& operator=(const COFEData&) = delete;

  // Reads a whole OFE file; messages of the model go to logPath from then on (null or empty: nowhere). mode
  // and flag are not used. 1, or 0 when the file is refused: the model is then empty and errorText() says
  // why.
  int ReadDataBin(const char* ofePath, const char* logPath, int mode, bool flag);

  // Appends text to the log, as it stands.
  void DumpInfoMsg(const char* text);
  void DumpErrMsg(const char* text);

  const MeshModel& model() const { return model_; }
  const std::string& path() const { return path_; }
  // Why the file was refused, in one line without its name; empty when it was read.
  const std::string& errorText() const { return error_; }
  // What the reader noticed and let pass, a line each.
  const std::vector<std::string>& warnings() const { return warnings_; }

  // Contact faces of part, inserts and mold; computed at the first call, kind 0 first by surface number, then
  // kind 1 by insert element and face.
  const std::vector<ContactFaceRecord>& contactFaces();

 protected:
  MeshModel model_;

 private:
  void openLog(const char* logPath);

  std::string path_;
  std::string error_;
  std::vector<std::string> warnings_;
  std::shared_ptr<const void> storage_;  // what the model's spans look into
  std::unique_ptr<std::vector<ContactFaceRecord>> contactFaces_;
  std::string logPath_;
};
