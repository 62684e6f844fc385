# What runs inside a JVM (being written).
