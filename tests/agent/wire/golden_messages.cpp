#include "agent/wire/golden_messages.h"

namespace slp {
namespace {

Header Head(std::uint16_t xid) {
  Header header;
  header.xid = xid;
  return header;
}

GoldenMessage ServiceRequest() {
  Header header = Head(0x1234);
  header.request_multicast = true;
  return {"SrvRqst",
          ToBytes("\x02\x01"
                  "\x00\x00\x48"  // 72
                  "\x20\x00"      // REQUEST MCAST
                  "\x00\x00\x00"
                  "\x12\x34"
                  "\x00\x02"
                  "en"
                  "\x00\x08"
                  "10.0.0.1"
                  "\x00\x0B"
                  "service:x.y"
                  "\x00\x07"
                  "DEFAULT"
                  "\x00\x0C"
                  "(a=1,2)(b<3)"
                  "\x00\x08"
                  "SPI-one2"),
          {header, SrvRqst{"10.0.0.1", "service:x.y", "DEFAULT", "(a=1,2)(b<3)", "SPI-one2"}}};
}

GoldenMessage MinimalServiceRequest() {
  return {"EmptySrvRqst",
          ToBytes("\x02\x01"
                  "\x00\x00\x18"
                  "\x00\x00"
                  "\x00\x00\x00"
                  "\x00\x00"
                  "\x00\x00"
                  "\x00\x00"
                  "\x00\x00"
                  "\x00\x00"
                  "\x00\x00"
                  "\x00\x00"),
          {Header{.overflow = false,
                  .fresh = false,
                  .request_multicast = false,
                  .xid = 0,
                  .language = "",
                  .extensions = {}},
           SrvRqst{}}};
}

GoldenMessage ServiceReply() {
  Header header = Head(0xFFFE);
  header.language = "de-AT";
  return {
      "SrvRply",
      ToBytes("\x02\x02"
              "\x00\x00\x4A"
              "\x00\x00"
              "\x00\x00\x00"
              "\xFF\xFE"
              "\x00\x05"
              "de-AT"
              "\x00\x00"  // error
              "\x00\x02"  // two entries
              "\x00"      // reserved
              "\x2A\x30"  // 10800
              "\x00\x0D"
              "service:x://a"
              "\x00"
              "\x00"
              "\xFF\xFF"
              "\x00\x0D"
              "service:x://b"
              "\x01"      // one authentication block
              "\x00\x02"  // DSA with SHA-1
              "\x00\x0D"
              "\x01\x02\x03\x04"
              "\x00\x03"
              "SPI"),
      {header, SrvRply{Error::kOk,
                       {UrlEntry{10800, "service:x://a", {}},
                        UrlEntry{65535, "service:x://b", {{2, ToBytes("\x01\x02\x03\x04\x00\x03SPI")}}}}}}};
}

GoldenMessage EmptyServiceReply() {
  return {"CutSrvRplyWithError",
          ToBytes("\x02\x02"
                  "\x00\x00\x14"
                  "\x80\x00"  // OVERFLOW
                  "\x00\x00\x00"
                  "\x00\x01"
                  "\x00\x02"
                  "en"
                  "\x00\x04"  // SCOPE_NOT_SUPPORTED
                  "\x00\x00"),
          {Header{.overflow = true,
                  .fresh = false,
                  .request_multicast = false,
                  .xid = 1,
                  .language = "en",
                  .extensions = {}},
           SrvRply{Error::kScopeNotSupported, {}}}};
}

GoldenMessage ServiceRegistration() {
  Header header = Head(7);
  header.fresh = true;
  header.extensions = {{kExtensionProcessId, {0, 0, 0x10, 0x92}},
                       {kExtensionProcessIdExperimental, {0, 0, 0x10, 0x92}}};
  return {
      "SrvReg",
      ToBytes("\x02\x03"
              "\x00\x00\x5A"
              "\x40\x00"      // FRESH
              "\x00\x00\x48"  // the first extension stands at 72
              "\x00\x07"
              "\x00\x02"
              "en"
              "\x00"
              "\x00\x3C"
              "\x00\x0D"
              "service:x://a"
              "\x00"
              "\x00\x09"
              "service:x"
              "\x00\x05"
              "TAMRO"
              "\x00\x0A"
              "(q=1),flag"
              "\x01"
              "\x80\x01"  // private use
              "\x00\x06"
              "\xAB\xCD"
              "\x40\x01"
              "\x00\x00\x51"  // the second one at 81
              "\x00\x00\x10\x92"
              "\x97\x99"
              "\x00\x00\x00"
              "\x00\x00\x10\x92"),
      {header,
       SrvReg{
           UrlEntry{60, "service:x://a", {}}, "service:x", "TAMRO", "(q=1),flag", {{0x8001, {0xAB, 0xCD}}}}}};
}

GoldenMessage ServiceDeregistration() {
  return {"SrvDereg",
          ToBytes("\x02\x04"
                  "\x00\x00\x38"
                  "\x00\x00"
                  "\x00\x00\x00"
                  "\xAB\xCD"
                  "\x00\x02"
                  "en"
                  "\x00\x0D"
                  "DEFAULT,TAMRO"
                  "\x00"
                  "\x00\x00"
                  "\x00\x0C"
                  "service:x://"
                  "\x00"
                  "\x00\x05"
                  "a,b-*"),
          {Head(0xABCD), SrvDereg{"DEFAULT,TAMRO", UrlEntry{0, "service:x://", {}}, "a,b-*"}}};
}

GoldenMessage ServiceAcknowledgment() {
  return {"SrvAck",
          ToBytes("\x02\x05"
                  "\x00\x00\x12"
                  "\x00\x00"
                  "\x00\x00\x00"
                  "\x00\x07"
                  "\x00\x02"
                  "en"
                  "\x00\x0D"),  // INVALID_UPDATE
          {Head(7), SrvAck{Error::kInvalidUpdate}}};
}

GoldenMessage AttributeRequest() {
  return {"AttrRqst",
          ToBytes("\x02\x06"
                  "\x00\x00\x33"
                  "\x00\x00"
                  "\x00\x00\x00"
                  "\x01\x00"
                  "\x00\x02"
                  "en"
                  "\x00\x00"
                  "\x00\x0D"
                  "service:x://a"
                  "\x00\x07"
                  "default"
                  "\x00\x05"
                  "x-*,q"
                  "\x00\x00"),
          {Head(0x100), AttrRqst{"", "service:x://a", "default", "x-*,q", ""}}};
}

GoldenMessage AttributeReply() {
  return {"AttrRply",
          ToBytes("\x02\x07"
                  "\x00\x00\x23"
                  "\x00\x00"
                  "\x00\x00\x00"
                  "\x01\x00"
                  "\x00\x02"
                  "en"
                  "\x00\x00"
                  "\x00\x0A"
                  "(a=\xC3\xBC\\2C1)"
                  "\x01"
                  "\x00\x02"
                  "\x00\x04"),  // a block of nothing but its head
          {Head(0x100), AttrRply{Error::kOk, "(a=\xC3\xBC\\2C1)", {{2, {}}}}}};
}

GoldenMessage DirectoryAgentAdvertisement() {
  return {"DAAdvert",
          ToBytes("\x02\x08"
                  "\x00\x00\x57"
                  "\x00\x00"
                  "\x00\x00\x00"
                  "\x00\x00"
                  "\x00\x02"
                  "en"
                  "\x00\x00"
                  "\x65\x43\x21\x00"
                  "\x00\x20"
                  "service:directory-agent://1.2.3."
                  "\x00\x03"
                  "A,B"
                  "\x00\x05"
                  "(a=b)"
                  "\x00\x07"
                  "SPI,two"
                  "\x02"
                  "\x00\x02"
                  "\x00\x05"
                  "\x99"
                  "\x00\x03"
                  "\x00\x04"),
          {Head(0), DaAdvert{Error::kOk,
                             0x65432100,
                             "service:directory-agent://1.2.3.",
                             "A,B",
                             "(a=b)",
                             "SPI,two",
                             {{2, {0x99}}, {3, {}}}}}};
}

GoldenMessage ServiceTypeRequest() {
  return {"SrvTypeRqst",
          ToBytes("\x02\x09"
                  "\x00\x00\x1F"
                  "\x00\x00"
                  "\x00\x00\x00"
                  "\x00\x03"
                  "\x00\x02"
                  "en"
                  "\x00\x00"
                  "\x00\x04"
                  "zdre"
                  "\x00\x05"
                  "tamro"),
          {Head(3), SrvTypeRqst{"", "zdre", "tamro"}}};
}

GoldenMessage ServiceTypeRequestForAllAuthorities() {
  return {"SrvTypeRqstForAllAuthorities",
          ToBytes("\x02\x09"
                  "\x00\x00\x22"
                  "\x20\x00"
                  "\x00\x00\x00"
                  "\x00\x03"
                  "\x00\x02"
                  "en"
                  "\x00\x07"
                  "1.2.3.4"
                  "\xFF\xFF"  // the text itself is left out
                  "\x00\x05"
                  "tamro"),
          {Header{.overflow = false,
                  .fresh = false,
                  .request_multicast = true,
                  .xid = 3,
                  .language = "en",
                  .extensions = {}},
           SrvTypeRqst{"1.2.3.4", std::nullopt, "tamro"}}};
}

GoldenMessage ServiceTypeRequestForTheDefaultAuthority() {
  return {"SrvTypeRqstForTheDefaultAuthority",
          ToBytes("\x02\x09"
                  "\x00\x00\x16"
                  "\x00\x00"
                  "\x00\x00\x00"
                  "\x00\x03"
                  "\x00\x02"
                  "en"
                  "\x00\x00"
                  "\x00\x00"
                  "\x00\x00"),
          {Head(3), SrvTypeRqst{"", "", ""}}};
}

GoldenMessage ServiceTypeReply() {
  return {"SrvTypeRply",
          ToBytes("\x02\x0A"
                  "\x00\x00\x2B"
                  "\x00\x00"
                  "\x00\x00\x00"
                  "\x00\x03"
                  "\x00\x02"
                  "en"
                  "\x00\x00"
                  "\x00\x17"
                  "service:x.zdre,service:"),
          {Head(3), SrvTypeRply{Error::kOk, "service:x.zdre,service:"}}};
}

GoldenMessage ServiceAgentAdvertisement() {
  Header header = Head(9);
  header.extensions = {{0x0001, ToBytes("abc")}};  // missing service template: optional
  return {"SAAdvert",
          ToBytes("\x02\x0B"
                  "\x00\x00\x54"
                  "\x00\x00"
                  "\x00\x00\x4C"
                  "\x00\x09"
                  "\x00\x02"
                  "en"
                  "\x00\x1D"
                  "service:service-agent://1.2.3"
                  "\x00\x05"
                  "TAMRO"
                  "\x00\x13"
                  "(service-type=x,yz)"
                  "\x00"
                  "\x00\x01"
                  "\x00\x00\x00"
                  "abc"),
          {header, SaAdvert{"service:service-agent://1.2.3", "TAMRO", "(service-type=x,yz)", {}}}};
}

}  // namespace

const std::vector<GoldenMessage>& GoldenMessages() {
  static const std::vector<GoldenMessage> messages = {
      ServiceRequest(),
      MinimalServiceRequest(),
      ServiceReply(),
      EmptyServiceReply(),
      ServiceRegistration(),
      ServiceDeregistration(),
      ServiceAcknowledgment(),
      AttributeRequest(),
      AttributeReply(),
      DirectoryAgentAdvertisement(),
      ServiceTypeRequest(),
      ServiceTypeRequestForAllAuthorities(),
      ServiceTypeRequestForTheDefaultAuthority(),
      ServiceTypeReply(),
      ServiceAgentAdvertisement(),
  };
  return messages;
}

}  // namespace slp
