/**
 * Prints what a candidate JVM says about itself, for the launcher.
 *
 * <p>The launcher runs this class in the JVM under test, with the names of system properties as
 * arguments, and reads standard output: first the magic line, which separates our output from the
 * banners and warnings that some JVMs print, then one line for each name, in order, with the value
 * of that property. A property that the JVM does not have, and an empty name, give an empty line.
 *
 * <p>The class has to run in whatever JVM a user's machine holds, so that an old one is refused for
 * its version and not for a class file that it cannot read: it keeps to the oldest language and
 * library, has no package (its name is on the launcher's command line), and is compiled for the
 * oldest release that the JDK at hand can still write (see cmake/Java.cmake).
 */
public final class Verify {
    private static final String MAGIC = "1739021872";

    private Verify() {
    }

    public static void main(String[] names) {
        StringBuffer out = new StringBuffer(MAGIC).append('\n');
        for (int i = 0; i < names.length; i++) {
            out.append(valueOf(names[i])).append('\n');
        }
        System.out.print(out.toString());
        System.out.flush();
    }

    /** The property's value on one line: a line break in it would be taken for the next value. */
    private static String valueOf(String name) {
        String value = name.length() == 0 ? null : System.getProperty(name);
        return value == null ? "" : value.replace('\r', ' ').replace('\n', ' ');
    }
}
