#pragma once

#include <string>

namespace lumora {

/// The texts of a problem report from one device.
///
///     const ProblemReport report("iPhone6,1", "7.0.4");
///     composer->setSubject(report.subject());   // "Lumora -- iPhone6,1(7.0.4)"
class ProblemReport {
  public:
    /// The report of the device that this runs on; a model that the system does not tell is empty.
    [[nodiscard]] static ProblemReport ofThisDevice();
    ProblemReport(std::string deviceModel, std::string firmware);

    [[nodiscard]] std::string subject() const;
    /// Plain text, with two prompts for the user to write over.
    [[nodiscard]] std::string body() const;

  private:
    std::string deviceModel_;
    std::string firmware_;
};

} // namespace lumora
