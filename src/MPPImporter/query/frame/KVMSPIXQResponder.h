#pragma once

// Base of every reader: an object that stands where an XML element would stand and answers path
// queries. The query layer gives it its adapter; at this level it is only the common base.
class KVMSPIXQResponder {
public:
    virtual ~KVMSPIXQResponder() = default;
    KVMSPIXQResponder(const KVMSPIXQResponder&) = delete;
    KVMSPIXQResponder& operator=(const KVMSPIXQResponder&) = delete;

protected:
    KVMSPIXQResponder() = default;
};
