-- fondarix_granty: grant accounting. Tables come with the grant subsystem.
SELECT 1;
